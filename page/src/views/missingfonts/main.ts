import { startView } from '@/shared/view';
import MissingFontsView from './MissingFontsView.vue';

startView(MissingFontsView, 'missingfonts');
