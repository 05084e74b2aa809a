import { startView } from '@/shared/view';
import ProcessesView from './ProcessesView.vue';

startView(ProcessesView, 'processes');
