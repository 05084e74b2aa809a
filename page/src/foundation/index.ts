/** What every view shares and loads once: Vue and the texts' engine. */
import './polyfills';

export * as Vue from 'vue';
export * as VueI18n from 'vue-i18n';
