// What the page fetches before the show can start: the program, the pictures and meshes, the song.
// content.json lists them with their sizes, for a server that compresses does not tell them.

// A file that did not come.
export class Missing extends Error {
    constructor(file, why) {
        super(`${file} did not load (${why}).`);
        this.file = file;
    }
}

async function fetchfile(name, progress) {
    let response;
    try {
        response = await fetch(new URL(name, import.meta.url));
    } catch (error) {
        throw new Missing(name, 'no answer from the server');
    }
    if (!response.ok)
        throw new Missing(name, `the server says ${response.status}`);
    const chunks = [];
    let length = 0;
    const reader = response.body.getReader();
    try {
        for (;;) {
            const {done, value} = await reader.read();
            if (done)
                break;
            chunks.push(value);
            length += value.length;
            progress(value.length);
        }
    } catch (error) {
        throw new Missing(name, 'it broke off');
    }
    return joined(chunks, length);
}

function joined(chunks, length) {
    const bytes = new Uint8Array(length);
    let at = 0;
    for (const chunk of chunks) {
        bytes.set(chunk, at);
        at += chunk.length;
    }
    return bytes;
}

async function fetchlist() {
    return JSON.parse(new TextDecoder().decode(await fetchfile('content.json', () => {})));
}

// Fetches everything at once. progress(fraction) is called as it comes. The song has a promise of
// its own in the result, for without it the show still plays.
export async function loadcontent(progress) {
    const list = await fetchlist();
    const sizes = [list.program, list.song, ...list.files].map(file => file.bytes);
    const total = sizes.reduce((sum, bytes) => sum + bytes);
    let come = 0;
    const count = bytes => progress(Math.min(1, (come += bytes) / total));
    const song = fetchfile(list.song.name, count);
    song.catch(() => count(list.song.bytes)); // what never comes is not waited for
    const program = fetchfile(list.program.name, count).then(bytes => WebAssembly.compile(bytes));
    const files = list.files.map(async file => ({name: file.as, bytes: await fetchfile(file.name, count)}));
    return {program: await program, files: await Promise.all(files), song};
}
