import { InfoFilled } from '@element-plus/icons-vue';
import type { Tool } from '@/frame/tools';

export const tool: Tool = { group: 'help', order: 10, icon: InfoFilled, type: '' };
