import { EditPen } from '@element-plus/icons-vue';
import type { Tool } from '@/shared/tools';

export const tool: Tool = { group: 'machine', order: 3, icon: EditPen, type: '' };
