// One run of the show: an instance of the program with a canvas of its own. Whoever runs it gives a
// host (see web.h) that says when frames are wanted and what time it is.
import tarvisk from './tarvisk.js';

// The program ends by an exception, which nobody catches where it went on after a wait.
addEventListener('unhandledrejection', event => {
    if (event.reason?.name === 'ExitStatus')
        event.preventDefault();
});

function writefiles(fs, files) {
    for (const {name, bytes} of files) {
        const folder = name.lastIndexOf('/');
        if (folder > 0 && !fs.analyzePath(name.slice(0, folder)).exists)
            fs.mkdir(name.slice(0, folder));
        fs.writeFile(name, bytes, {canOwn: true});
    }
}

// Returns the instance; its start() starts the show, and its `ended` is a promise of the exit status
// or, where the show broke off, of the reason. Rejects where there is no memory for one.
export async function openshow(content, canvas, host) {
    let end;
    const ended = new Promise(resolve => { end = resolve; });
    const module = await new Promise((resolve, reject) => {
        tarvisk({
            canvas,
            host,
            print: line => host.print(line),
            printErr: line => host.print(line),
            instantiateWasm(imports, done) {
                WebAssembly.instantiate(content.program, imports)
                    .then(instance => done(instance, content.program))
                    .catch(reject);
                return {};
            },
            onExit: status => end({status}),
            onAbort: reason => end({reason: String(reason)}),
        }).then(resolve, reject);
    });
    writefiles(module.FS, content.files);
    module.start = () => module.callMain([]);
    module.ended = ended;
    return module;
}

// Frees what a run held of the graphics card, whether it has ended or not.
export function closeshow(canvas) {
    const context = canvas.getContext('webgl2') || canvas.getContext('webgl');
    context?.getExtension('WEBGL_lose_context')?.loseContext();
}

// The names of the scenes with the beats at which they begin.
export function scenesof(module) {
    return Array.from({length: module._web_scenecount()}, (_, i) => ({
        name: module.UTF8ToString(module._web_scenename(i)),
        beat: module._web_scenebeat(i),
    }));
}
