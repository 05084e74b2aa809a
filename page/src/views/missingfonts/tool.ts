import { Brush } from '@element-plus/icons-vue';
import type { Tool } from '@/frame/tools';

export const tool: Tool = { group: 'documents', order: 1, icon: Brush, type: '' };
