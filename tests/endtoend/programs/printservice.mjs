import { createServer } from 'node:http';

// A printing service that speaks the protocol of CUPS's library on the given port. It has two
// printers: a stopped one and the default one.

const printerTag = 0x04;
const endTag = 0x03;
const operationTag = 0x01;
const typeTags = {
    charset: 0x47,
    language: 0x48,
    name: 0x42,
    keyword: 0x44,
    choice: 0x23,
    boolean: 0x22,
};
const idle = 3;
const stopped = 5;
const getPrinters = 0x4002;

const byte = (value) => Buffer.from([value]);

function short(value) {
    const bytes = Buffer.alloc(2);
    bytes.writeUInt16BE(value);
    return bytes;
}

function valueBytes(type, value) {
    if (type === 'boolean') return byte(value ? 1 : 0);
    if (type !== 'choice') return Buffer.from(value);
    const bytes = Buffer.alloc(4);
    bytes.writeUInt32BE(value);
    return bytes;
}

function attribute(type, name, value) {
    const bytes = valueBytes(type, value);
    return Buffer.concat([
        byte(typeTags[type]),
        short(name.length),
        Buffer.from(name),
        short(bytes.length),
        bytes,
    ]);
}

function printer(name, state, reason) {
    return Buffer.concat([
        byte(printerTag),
        attribute('name', 'printer-name', name),
        attribute('choice', 'printer-state', state),
        attribute('keyword', 'printer-state-reasons', reason),
        attribute('boolean', 'printer-is-accepting-jobs', true),
    ]);
}

const officePrinter = printer('office', idle, 'none');
const hallPrinter = printer('hall', stopped, 'media-empty-error');

function answer(request) {
    const operation = request.readUInt16BE(2);
    return Buffer.concat([
        Buffer.from([2, 0, 0, 0]),
        request.subarray(4, 8),
        byte(operationTag),
        attribute('charset', 'attributes-charset', 'utf-8'),
        attribute('language', 'attributes-natural-language', 'en'),
        officePrinter,
        operation === getPrinters ? hallPrinter : Buffer.alloc(0),
        byte(endTag),
    ]);
}

createServer(async (request, response) => {
    const pieces = [];
    for await (const piece of request) pieces.push(piece);
    response.writeHead(200, { 'Content-Type': 'application/ipp' });
    response.end(answer(Buffer.concat(pieces)));
}).listen(Number(process.argv[2]), '127.0.0.1');
