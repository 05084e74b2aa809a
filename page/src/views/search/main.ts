import { startView } from '@/shared/view';
import SearchView from './SearchView.vue';

startView(SearchView, 'search');
