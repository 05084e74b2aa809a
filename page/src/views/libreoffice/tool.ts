import { OfficeBuilding } from '@element-plus/icons-vue';
import type { Tool } from '@/frame/tools';

export const tool: Tool = { group: 'suite', order: 0, icon: OfficeBuilding, type: '' };
