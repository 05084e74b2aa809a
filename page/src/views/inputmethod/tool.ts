import { EditPen } from '@element-plus/icons-vue';
import type { Tool } from '@/frame/tools';

export const tool: Tool = { group: 'machine', order: 3, icon: EditPen, type: '' };
