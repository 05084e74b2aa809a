import { startView } from '@/shared/view';
import EnvironmentCheckView from './EnvironmentCheckView.vue';

startView(EnvironmentCheckView, 'environmentcheck');
