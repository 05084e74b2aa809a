import { startView } from '@/shared/view';
import LayoutView from './LayoutView.vue';

startView(LayoutView, 'layout');
