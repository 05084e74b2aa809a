import { Odometer } from '@element-plus/icons-vue';
import type { Tool } from '@/shared/tools';

export const tool: Tool = { group: 'machine', order: 2, icon: Odometer, type: '' };
