import { Switch } from '@element-plus/icons-vue';
import type { Tool } from '@/frame/tools';

export const tool: Tool = {
    group: 'help',
    order: 2,
    icon: Switch,
    type: '',
    isOffered: (client) => client.reports.isOffered,
};
