import { startView } from '@/frame/view';
import AboutView from './AboutView.vue';

startView(AboutView, 'about');
