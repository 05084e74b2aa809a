import { startView } from '@/frame/view';
import LayoutView from './LayoutView.vue';

startView(LayoutView, 'layout');
