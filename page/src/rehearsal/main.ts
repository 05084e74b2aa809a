/**
 * A view that nobody sees: when it has been shown once, Chromium has compiled what all views run,
 * and the first of them opens in the time of the second.
 */
import { startView } from '@/frame/view';
import RehearsedView from './RehearsedView.vue';

const texts = JSON.stringify({ rehearsal: { title: '', what: '', sum: '{row} {count}' } });
window.pageTexts = { en: texts, 'zh-CN': texts };
startView(RehearsedView, 'rehearsal');
