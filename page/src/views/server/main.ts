import { startView } from '@/shared/view';
import ServerView from './ServerView.vue';

startView(ServerView, 'server');
