import { Finished } from '@element-plus/icons-vue';
import type { Tool } from '@/frame/tools';

/** Closing a window of this type makes a check under way throw its finding away. */
export const tool: Tool = { group: 'suite', order: 3, icon: Finished, type: 'vyrrunningcheck' };
