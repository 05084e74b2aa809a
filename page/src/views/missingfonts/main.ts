import { startView } from '@/frame/view';
import MissingFontsView from './MissingFontsView.vue';

startView(MissingFontsView, 'missingfonts');
