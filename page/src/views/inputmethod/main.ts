import { startView } from '@/shared/view';
import InputMethodView from './InputMethodView.vue';

startView(InputMethodView, 'inputmethod');
