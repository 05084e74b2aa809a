import { startView } from '@/frame/view';
import CompareView from './CompareView.vue';

startView(CompareView, 'compare');
