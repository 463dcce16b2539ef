// The fixed parts of the report page: its head with the style and the
// content security policy, and its script at the end.
#include "JTK/review/HtmlReport.h"
#include "JTK/review/HtmlText.h"

namespace jtk::review {

namespace {

// Nothing but this page's own inline style and script, and data: pictures.
constexpr const char* policy =
    "default-src 'none'; img-src data:; style-src 'unsafe-inline'; script-src 'unsafe-inline'; "
    "base-uri 'none'; form-action 'none'";

constexpr const char* style = R"CSS(
:root { color-scheme: light; --ok: #1a7f37; --bad: #cf222e; --warn: #9a6700; --line: #d0d7de; }
body { font: 15px/1.45 system-ui, "DejaVu Sans", sans-serif; margin: 24px; color: #1f2328; background: #fff; }
h1 { font-size: 24px; margin: 0 0 4px; }
h2 { font-size: 19px; margin: 0 0 8px; }
h3 { font-size: 15px; margin: 16px 0 6px; font-weight: 600; word-break: break-all; }
.where { color: #59636e; margin: 0 0 16px; word-break: break-all; }
.counts { display: flex; flex-wrap: wrap; gap: 8px; margin: 0 0 12px; padding: 0; list-style: none; }
.counts li { border: 1px solid var(--line); border-radius: 6px; padding: 6px 12px; min-width: 90px; }
.counts b { display: block; font-size: 22px; }
.counts .bad b { color: var(--bad); } .counts .warn b { color: var(--warn); } .counts .ok b { color: var(--ok); }
#status { font-weight: 600; } #status.bad { color: var(--bad); } #status.ok { color: var(--ok); }
table { border-collapse: collapse; margin: 12px 0 24px; }
th, td { border-bottom: 1px solid var(--line); padding: 4px 12px 4px 0; text-align: left; vertical-align: top; }
td.n { text-align: right; font-variant-numeric: tabular-nums; }
.result { display: inline-block; border-radius: 10px; padding: 0 8px; font-size: 13px; color: #fff; background: #59636e; }
.result.passed { background: var(--ok); } .result.failed, .result.error { background: var(--bad); }
section.test { border-top: 3px solid var(--line); padding: 12px 0 20px; }
pre { background: #f6f8fa; padding: 8px; overflow-x: auto; white-space: pre-wrap; }
.pictures { display: flex; flex-wrap: wrap; gap: 16px; align-items: flex-start; }
figure { margin: 0; }
figcaption { font-size: 13px; color: #59636e; margin-bottom: 4px; }
figure img { display: block; border: 1px solid var(--line); image-rendering: pixelated; max-width: none;
  background: repeating-conic-gradient(#e6e6e6 0 25%, #fff 0 50%) 0 0 / 16px 16px; }
figure.flip img { cursor: pointer; outline: 2px solid #0969da; }
.missing { border: 1px dashed var(--bad); color: var(--bad); padding: 8px; max-width: 360px; font-size: 13px; word-break: break-all; }
.note { color: #59636e; font-size: 13px; }
label { font-size: 13px; }
)CSS";

constexpr const char* script = R"JS(
(function () {
  var pictures = Array.prototype.slice.call(document.images);
  function zoom(factor) {
    pictures.forEach(function (img) { if (img.naturalWidth) img.style.width = (img.naturalWidth * factor) + 'px'; });
  }
  document.querySelectorAll('figure.flip').forEach(function (figure) {
    var pair = figure.closest('.pair');
    var accepted = pair.querySelector('figure.accepted img'), pending = pair.querySelector('figure.pending img');
    var img = figure.querySelector('img'), caption = figure.querySelector('figcaption span');
    img.src = accepted.src;
    img.addEventListener('click', function () {
      var showNew = img.dataset.showing !== 'new';
      img.src = showNew ? pending.src : accepted.src;
      img.dataset.showing = showNew ? 'new' : 'accepted';
      caption.textContent = showNew ? 'new' : 'accepted';
    });
  });
  var choice = document.getElementById('zoom');
  choice.addEventListener('change', function () { zoom(Number(choice.value)); });
  window.addEventListener('load', function () {
    var shown = pictures.filter(function (img) { return img.complete && img.naturalWidth > 0; }).length;
    var status = document.getElementById('status');
    status.dataset.images = pictures.length;
    status.dataset.shown = shown;
    status.className = shown === pictures.length ? 'ok' : 'bad';
    status.textContent = shown === pictures.length ? 'All ' + pictures.length + ' pictures show.'
      : (pictures.length - shown) + ' of ' + pictures.length + ' pictures do not show.';
    zoom(Number(choice.value));
  });
})();
)JS";

}  // namespace

std::string reportHead(const std::string& title) {
    return std::string("<!DOCTYPE html>\n<html lang=\"en\">\n<head>\n<meta charset=\"utf-8\">\n") +
           "<meta http-equiv=\"Content-Security-Policy\" content=\"" + policy + "\">\n" +
           "<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\">\n<title>" + escapeHtml(title) +
           "</title>\n<style>" + style + "</style>\n</head>\n<body>\n";
}

std::string reportTail() { return std::string("<script>") + script + "</script>\n</body>\n</html>\n"; }

}  // namespace jtk::review
