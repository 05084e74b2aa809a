const page = 'about.html';

export const scenes = [{ name: 'about', page, shows: 'vue-i18n' }];
