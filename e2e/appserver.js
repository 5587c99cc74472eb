// Starts the built auxserve on a scratch copy of the sample application
// (setup, knowledge file, database, pages), on a free port of 127.0.0.1,
// and stops it again. The samples themselves are never written.
'use strict';
const { spawn, spawnSync } = require('node:child_process');
const fs = require('node:fs');
const os = require('node:os');
const path = require('node:path');

const ROOT = path.resolve(__dirname, '..');

// `today` pins the server's date (D.M.YYYY) so that ages and reports do not
// move with the calendar.
async function startAppServer({ today = '1.6.2024' } = {}) {
  const program = process.env.AUXSERVE || path.join(ROOT, 'build', 'bin', 'auxserve');
  if (!fs.existsSync(program)) throw new Error(`${program} is not built; run make e2e`);
  const dir = fs.mkdtempSync(path.join(os.tmpdir(), 'aux-app-'));
  for (const name of ['auxserve.txt', 'knowledge.bin', 'probands.bin', 'pages'])
    fs.cpSync(path.join(ROOT, 'samples', name), path.join(dir, name), { recursive: true });

  const child = spawn(program, [path.join(dir, 'auxserve.txt'), '--port', '0', '--today', today],
    { stdio: ['ignore', 'pipe', 'pipe'] });
  let log = '';
  child.stderr.on('data', (chunk) => { log += chunk; });

  const url = await new Promise((resolve, reject) => {
    let out = '';
    const timer = setTimeout(() => fail(new Error(`auxserve did not start in 10 s:\n${out}${log}`)), 10000);
    function fail(error) { clearTimeout(timer); child.kill('SIGKILL'); reject(error); }
    child.stdout.on('data', (chunk) => {
      out += chunk;
      const m = /listening on (http:\/\/127\.0\.0\.1:\d+\/)/.exec(out);
      if (m) { clearTimeout(timer); resolve(m[1]); }
    });
    child.on('exit', (code) => fail(new Error(`auxserve ended with ${code} at start:\n${out}${log}`)));
  });

  // Ends the server with SIGTERM and answers its exit code (null when it
  // had to be killed) with everything it wrote to standard error.
  async function stop() {
    if (child.exitCode === null && child.signalCode === null) {
      const ended = new Promise((resolve) => child.once('exit', resolve));
      child.kill('SIGTERM');
      const timer = setTimeout(() => child.kill('SIGKILL'), 5000);
      await ended;
      clearTimeout(timer);
    }
    fs.rmSync(dir, { recursive: true, force: true });
    return { code: child.exitCode, log };
  }
  return { url, dir, stop, log: () => log };
}

// Windows-1250 page bytes as text, as the browser reads them.
function decodePage(bytes) {
  return new TextDecoder('windows-1250').decode(bytes);
}

// tidy's complaints about one page, or null when tidy is not installed. The
// page is handed over in UTF-8. Engine-made links carry their parameters as
// "&name=" without "&amp;"; HTML5 reads "&" before a name that is no
// character reference as itself, but tidy warns of it, so only those
// warnings are passed over (names of the request parameters and variables:
// an underscore or capitals, followed by "=").
function tidyProblems(html) {
  if (spawnSync('tidy', ['-v']).error) return null;
  const run = spawnSync('tidy', ['-e', '-q', '-utf8', '--drop-empty-elements', 'no'], { input: html, encoding: 'utf8' });
  const lines = html.split('\n');
  return run.stderr.split('\n').filter((line) => {
    const m = /line (\d+) column (\d+) - Warning: unescaped & or unknown entity "&([A-Za-z_][A-Za-z0-9_]*)"/.exec(line);
    if (!m) return line.trim() !== '';
    const after = (lines[Number(m[1]) - 1] || '').substr(Number(m[2]) + m[3].length, 1);
    return !(/^(_|[A-Z])/.test(m[3]) && after === '=');
  });
}

module.exports = { startAppServer, decodePage, tidyProblems };
