import { startView } from '@/frame/view';
import HomeView from './HomeView.vue';

startView(HomeView, 'home');
