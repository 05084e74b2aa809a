import { startView } from '@/frame/view';
import ShortcutsView from './ShortcutsView.vue';

startView(ShortcutsView, 'shortcuts');
