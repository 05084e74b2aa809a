import { startView } from '@/frame/view';
import FeedbackView from './FeedbackView.vue';

startView(FeedbackView, 'feedback');
