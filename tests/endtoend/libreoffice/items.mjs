/** An item of the settings that sets one property. */
export const entry = (path, name, value) =>
    `<item oor:path="${path}"><prop oor:name="${name}" oor:op="fuse"><value>${value}</value></prop></item>\n`;
/** An item of the settings with a node of that name. */
export const node = (path, name, values) =>
    `<item oor:path="${path}"><node oor:name="${name}" oor:op="replace">${Object.entries(values)
        .map(
            ([key, value]) =>
                `<prop oor:name="${key}" oor:op="fuse"><value>${value}</value></prop>`,
        )
        .join('')}</node></item>\n`;
/** A recent document. */
export const recent = (address) =>
    node(
        "/org.openoffice.Office.Histories/Histories/org.openoffice.Office.Histories:HistoryInfo['PickList']/ItemList",
        address,
        { Title: 'recent' },
    );
