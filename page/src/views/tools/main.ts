import { startView } from '@/frame/view';
import ToolsView from './ToolsView.vue';

startView(ToolsView, 'tools');
