// Looks into 64-bit little-endian Mach-O files: the symbol tables of objects, the header of an executable.
// The layout is that of <mach-o/loader.h> and <mach-o/nlist.h>.
import { readFileSync, readdirSync } from 'node:fs';

const MAGIC_64 = 0xfeedfacf, CPU_ARM64 = 0x0100000c, MH_OBJECT = 1, MH_EXECUTE = 2;
const LC_SYMTAB = 0x2, LC_BUILD_VERSION = 0x32, PLATFORM_MACOS = 1;
const N_STAB = 0xe0, N_PEXT = 0x10, N_TYPE = 0x0e, N_EXT = 0x01, N_UNDF = 0, N_WEAK_DEF = 0x80;

function open(path, fileType) {
    const bytes = readFileSync(path);
    const at = (offset) => bytes.readUInt32LE(offset);
    if (at(0) !== MAGIC_64 || at(4) !== CPU_ARM64) throw new Error(`${path} isn't Mach-O for arm64`);
    if (at(12) !== fileType) throw new Error(`${path} is Mach-O of type ${at(12)}, not ${fileType}`);
    const commands = [];
    for (let i = 0, offset = 32; i < at(16); ++i, offset += at(offset + 4)) commands.push({ kind: at(offset), offset });
    return { bytes, at, commands };
}

/// External symbols of one object: needed here, made here, and made here in a way that allows others (inline).
function symbolsOf(path) {
    const { bytes, at, commands } = open(path, MH_OBJECT);
    const result = { needed: new Set(), made: new Set(), shared: new Set() };
    for (const { offset } of commands.filter((command) => command.kind === LC_SYMTAB)) {
        const [table, count, strings] = [at(offset + 8), at(offset + 12), at(offset + 16)];
        for (let entry = table; entry < table + 16 * count; entry += 16) {
            const type = bytes[entry + 4];
            if (type & N_STAB || !(type & N_EXT)) continue;
            const start = strings + at(entry);
            const name = bytes.toString('utf8', start, bytes.indexOf(0, start));
            if ((type & N_TYPE) === N_UNDF) result.needed.add(name);
            else if (bytes.readUInt16LE(entry + 6) & N_WEAK_DEF || type & N_PEXT) result.shared.add(name);
            else result.made.add(name);
        }
    }
    return result;
}

function gather(paths) {
    const needed = new Set(), made = new Map(), twice = [];
    for (const path of paths) {
        const symbols = symbolsOf(path);
        for (const name of symbols.needed) needed.add(name);
        for (const name of symbols.made) {
            if (made.has(name)) twice.push(`${name} stands in ${made.get(name)} and ${path}`);
            made.set(name, path);
        }
        for (const name of symbols.shared) if (!made.has(name)) made.set(name, path);
    }
    return { missing: [...needed].filter((name) => !made.has(name)).sort(), twice };
}

const jobs = {
    /// A text-based stub of libcrypto with the functions that the objects call and OpenSSL's headers declare.
    stub(headers, ...objects) {
        const declared = new Set();
        for (const file of readdirSync(headers)) {
            for (const call of readFileSync(`${headers}/${file}`, 'utf8').matchAll(/\b([A-Za-z]\w*)\s*\(/g)) declared.add(call[1]);
        }
        // Every name of the library begins with a family in capitals: what libSystem has is never taken from here.
        const used = gather(objects).missing.filter(
            (name) => /^_(?:[A-Z][A-Z0-9]+_|i2d_|d2i_|SHA\d|MD5$|HMAC$)/.test(name) && declared.has(name.slice(1)));
        if (used.length === 0) throw new Error('the objects call nothing of OpenSSL');
        console.log(['--- !tapi-tbd', 'tbd-version: 4', 'targets: [ arm64-macos ]',
            "install-name: '@rpath/libcrypto.3.dylib'", 'current-version: 3', 'compatibility-version: 3', 'exports:',
            '  - targets: [ arm64-macos ]', `    symbols: [ ${used.join(', ')} ]`, '...'].join('\n'));
    },

    executable(path) {
        const { bytes, at, commands } = open(path, MH_EXECUTE);
        const build = commands.find((command) => command.kind === LC_BUILD_VERSION);
        if (!build || at(build.offset + 8) !== PLATFORM_MACOS) throw new Error(`${path} names no macOS version`);
        const minimum = at(build.offset + 12);
        if (minimum >> 16 !== 13) throw new Error(`${path} asks for macOS ${minimum >> 16}`);
        console.log(`Linked: a Mach-O arm64 executable for macOS ${minimum >> 16}.${(minimum >> 8) & 255}, ${bytes.length} bytes.`);
    },

    /// Nothing of the program's own may be missing or stand twice; what is left is the system's and Qt's.
    closed(...objects) {
        const { missing, twice } = gather(objects);
        const wrong = [...missing.filter((name) => /^__Z\w*7corvane/.test(name)).map((name) => `${name} is defined nowhere`), ...twice];
        if (wrong.length) throw new Error(wrong.join('\n'));
        const classes = missing.filter((name) => name.startsWith('_OBJC_CLASS_$_')).map((name) => name.slice(14));
        console.log(`Complete: no symbol of the program's own is missing or stands twice in ${objects.length} objects.`);
        console.log(`  Of Apple's classes they use ${classes.join(', ')}.`);
    },
};

const [job, ...rest] = process.argv.slice(2);
try {
    jobs[job](...rest);
} catch (error) {
    console.error(error.message);
    process.exit(1);
}
