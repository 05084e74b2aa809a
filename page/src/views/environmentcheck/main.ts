import { startView } from '@/frame/view';
import EnvironmentCheckView from './EnvironmentCheckView.vue';

startView(EnvironmentCheckView, 'environmentcheck');
