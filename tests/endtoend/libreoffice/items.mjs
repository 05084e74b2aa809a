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
/** A text document in one font. */
export const textIn = (family, text = 'A plan.') => `<?xml version="1.0" encoding="UTF-8"?>
<office:document xmlns:office="urn:oasis:names:tc:opendocument:xmlns:office:1.0"
 xmlns:text="urn:oasis:names:tc:opendocument:xmlns:text:1.0"
 xmlns:style="urn:oasis:names:tc:opendocument:xmlns:style:1.0"
 xmlns:fo="urn:oasis:names:tc:opendocument:xmlns:xsl-fo-compatible:1.0"
 office:version="1.2" office:mimetype="application/vnd.oasis.opendocument.text">
<office:automatic-styles><style:style style:name="P1" style:family="paragraph">
<style:text-properties fo:font-family="${family}"/></style:style></office:automatic-styles>
<office:body><office:text><text:p text:style-name="P1">${text}</text:p></office:text></office:body>
</office:document>
`;
