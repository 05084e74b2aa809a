import { startView } from '@/frame/view';
import ProcessesView from './ProcessesView.vue';

startView(ProcessesView, 'processes');
