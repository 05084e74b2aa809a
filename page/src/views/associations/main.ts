import { startView } from '@/frame/view';
import AssociationsView from './AssociationsView.vue';

startView(AssociationsView, 'associations');
