/** The parts of the component library that views use; one shared script for all of them. */
import 'element-plus/theme-chalk/base.css';
import 'element-plus/theme-chalk/dark/css-vars.css';
import 'element-plus/theme-chalk/el-button.css';
import 'element-plus/theme-chalk/el-input.css';
import 'element-plus/theme-chalk/el-tab-pane.css';
import 'element-plus/theme-chalk/el-tabs.css';
import './theme.css';

export { keptButton as ElButton } from './button';
export { ElConfigProvider } from 'element-plus/es/components/config-provider/index.mjs';
export { ElInput } from 'element-plus/es/components/input/index.mjs';
export { ElTabPane, ElTabs } from 'element-plus/es/components/tabs/index.mjs';
export { default as english } from 'element-plus/es/locale/lang/en.mjs';
export { default as SwitchButton } from './SwitchButton.vue';
export { default as chinese } from 'element-plus/es/locale/lang/zh-cn.mjs';
