import { startView } from '@/frame/view';
import InputMethodView from './InputMethodView.vue';

startView(InputMethodView, 'inputmethod');
