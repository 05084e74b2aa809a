/** A text as the commands that take or give paths and names encode it. */
export const base64 = (text) => Buffer.from(text).toString('base64');
