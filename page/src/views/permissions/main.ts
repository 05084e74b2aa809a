import { startView } from '@/frame/view';
import PermissionsView from './PermissionsView.vue';

startView(PermissionsView, 'permissions');
