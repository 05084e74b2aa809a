import { startView } from '@/frame/view';
import SystemReportView from './SystemReportView.vue';

startView(SystemReportView, 'sysinfo');
