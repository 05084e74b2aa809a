import { startView } from '@/shared/view';
import PermissionsView from './PermissionsView.vue';

startView(PermissionsView, 'permissions');
