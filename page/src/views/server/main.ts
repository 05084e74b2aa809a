import { startView } from '@/frame/view';
import ServerView from './ServerView.vue';

startView(ServerView, 'server');
