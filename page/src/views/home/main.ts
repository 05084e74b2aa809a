import { startView } from '@/shared/view';
import HomeView from './HomeView.vue';

startView(HomeView, 'home');
