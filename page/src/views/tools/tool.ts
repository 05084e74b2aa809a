import { Briefcase } from '@element-plus/icons-vue';
import type { Tool } from '@/frame/tools';

export const tool: Tool = { group: 'help', order: 9, icon: Briefcase, type: '' };
