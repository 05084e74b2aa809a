import { startView } from '@/shared/view';
import ToolsView from './ToolsView.vue';

startView(ToolsView, 'tools');
