export { Chromium, chromiumPath } from './chromium.mjs';
export { Page } from './page.mjs';
export { end, freePort, parentOf, start } from './process.mjs';
export { waitFor } from './waiting.mjs';
