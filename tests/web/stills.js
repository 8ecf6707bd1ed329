// The page's show on a clock of its own, a fiftieth of a second a frame, and pictures of it: ?beats=
// says at which, the first frame at or past each.
import {turn} from '/clock.js';
import {loadcontent} from '/content.js';
import {openshow} from '/show.js';

const wakeup = 0.3; // beats drawn before a picture is taken, as the picture tests do
const options = new URLSearchParams(location.search);
const beats = options.get('beats').split(',').map(Number);
const canvas = document.getElementById('canvas');
let frames = 0;
let started = false;
let module;

window.pictures = {};
window.lines = [];
window.over = null; // when it has ended, how

if (options.has('webgl1')) {
    const getcontext = HTMLCanvasElement.prototype.getContext;
    HTMLCanvasElement.prototype.getContext = function (kind, ...rest) {
        return kind === 'webgl2' ? null : getcontext.call(this, kind, ...rest);
    };
}

const host = {
    events: [],
    buttons: 0,
    print: line => lines.push(line),
    now: () => frames / 50,
    song: async () => { started = true; return false; },
    halt() {},
    turn,
    async frame() {
        if (started) {
            take(module._web_beat());
            ++frames;
        }
        await turn();
    },
};

function take(beat) {
    while (beats.length && beat >= beats[0])
        pictures[beats.shift()] = canvas.toDataURL('image/png');
    if (!beats.length) {
        over = 'taken';
        host.events.push([2, 'q'.charCodeAt(0)]);
    } else if (beat < beats[0] - 2 * wakeup) {
        module._web_jump(beats[0] - wakeup);
    }
}

canvas.width = 427;
canvas.height = 240;
module = await openshow(await loadcontent(() => {}), canvas, host);
module.ended.then(end => { over ??= JSON.stringify(end); });
window.version = () => lines.find(line => line.startsWith('Version'));
module.start();
