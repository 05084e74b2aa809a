import { startView } from '@/frame/view';
import CrashView from './CrashView.vue';

startView(CrashView, 'crash');
