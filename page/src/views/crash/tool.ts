import { CircleCloseFilled } from '@element-plus/icons-vue';
import type { Tool } from '@/frame/tools';

/** The type makes the library watch for dumps while the view is open. */
export const tool: Tool = { group: 'suite', order: 2, icon: CircleCloseFilled, type: 'crash' };
