import { startView } from '@/shared/view';
import UpdaterView from './UpdaterView.vue';

startView(UpdaterView, 'updater');
