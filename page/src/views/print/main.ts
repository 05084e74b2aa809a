import { startView } from '@/shared/view';
import PrintView from './PrintView.vue';

startView(PrintView, 'print');
