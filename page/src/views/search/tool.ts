import { Search } from '@element-plus/icons-vue';
import type { Tool } from '@/frame/tools';

export const tool: Tool = { group: 'documents', order: 5, icon: Search, type: 'searchfile' };
