import { startView } from '@/shared/view';
import AssociationsView from './AssociationsView.vue';

startView(AssociationsView, 'associations');
