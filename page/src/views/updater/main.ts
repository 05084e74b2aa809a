import { startView } from '@/frame/view';
import UpdaterView from './UpdaterView.vue';

startView(UpdaterView, 'updater');
