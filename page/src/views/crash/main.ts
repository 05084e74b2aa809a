import { startView } from '@/shared/view';
import CrashView from './CrashView.vue';

startView(CrashView, 'crash');
