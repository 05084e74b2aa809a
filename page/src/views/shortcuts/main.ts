import { startView } from '@/shared/view';
import ShortcutsView from './ShortcutsView.vue';

startView(ShortcutsView, 'shortcuts');
