import { textsIn, textsOfViews } from '../../../page/build/texts.mjs';

const views = Object.entries(await textsOfViews());

/** The page's English texts: those of the frame, and those of each view under its name. */
export const pageTexts = {
    ...(await textsIn('frame')).en,
    ...Object.fromEntries(views.map(([view, texts]) => [view, texts.en])),
};

/** A text with its values filled in. */
export function filled(text, values) {
    return text.replace(/\{(\w+)\}/g, (_, name) => values[name]);
}
