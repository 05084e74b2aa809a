import { startView } from '@/shared/view';
import SystemReportView from './SystemReportView.vue';

startView(SystemReportView, 'sysinfo');
