import { startView } from '@/frame/view';
import SearchView from './SearchView.vue';

startView(SearchView, 'search');
