import { startView } from '@/shared/view';
import FeedbackView from './FeedbackView.vue';

startView(FeedbackView, 'feedback');
