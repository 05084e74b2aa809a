import { ChatLineSquare } from '@element-plus/icons-vue';
import type { Tool } from '@/frame/tools';

export const tool: Tool = { group: 'help', order: 1, icon: ChatLineSquare, type: '' };
