import { Monitor } from '@element-plus/icons-vue';
import type { Tool } from '@/frame/tools';

export const tool: Tool = { group: 'machine', order: 1, icon: Monitor, type: '' };
