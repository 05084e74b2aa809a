import { writeFile } from 'node:fs/promises';
import { Chromium } from 'browser-driver';
import { openView } from '../tests/browser/harness.mjs';
const pages='/work/wt-undo/build/suite/office/addons/vyrassistanttool/officeassistant/resource/html';
const wanted=process.argv.slice(2);
const browser=await Chromium.start();
for (const view of ['shortcuts','associations','crash','home','permissions','processes']) {
  const {scenes}=await import(`../tests/browser/scenes/${view}.mjs`);
  for (const scene of scenes.filter(({name})=>wanted.includes(name))) {
    const zh=scene.name.includes('preview');
    const page=await openView(browser,pages,scene,{theme:zh?'dark':'light',language:zh?'zh_CN':'en_US'});
    await scene.act?.(page); await new Promise(r=>setTimeout(r,3500));
    await writeFile(`/tmp/undo-${scene.name}.png`, await page.screenshot()); await page.close();
  }
}
await browser.close();
