import { startView } from '@/frame/view';
import PrintView from './PrintView.vue';

startView(PrintView, 'print');
