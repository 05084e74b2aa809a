import { startView } from '@/frame/view';
import SuiteView from './SuiteView.vue';

startView(SuiteView, 'libreoffice');
