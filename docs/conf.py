# The site; scripts/docs makes it, and says how.
import importlib.metadata
import pathlib
import re
import sys

root = pathlib.Path(__file__).resolve().parent.parent

project = "Orva_acc"
release = re.search(r"^project\(Orva_acc VERSION ([0-9.]+)", (root / "CMakeLists.txt").read_text(), re.M)[1]
version = release

extensions = ["myst_parser", "breathe", "sphinx.ext.autodoc", "sphinx.ext.napoleon"]
nitpicky = True
primary_domain = "cpp"
highlight_language = "none"  # a block says it where it has one

# Markdown
myst_enable_extensions = ["colon_fence"]
myst_heading_anchors = 3

# C and C++, from the headers
breathe_projects = {"headers": str(root / "build" / "doxygen" / "xml")}
breathe_default_project = "headers"
breathe_domain_by_extension = {"h": "c"}
breathe_show_include = False  # that would be the file's name without its folder

# Python, from the package: as it is in the sources, so without the library and without a version of its own
sys.path.insert(0, str(root / "python" / "src"))
autodoc_mock_imports = ["orva_acc._native"]
asked = importlib.metadata.version
importlib.metadata.version = lambda name: release if name == "orva_acc" else asked(name)
autodoc_member_order = "bysource"
autodoc_typehints = "none"  # the texts say it in words
napoleon_google_docstring = False
default_role = "code"

# What there is nothing to link to.
nitpick_ignore_regex = [
    ("(c|cpp):identifier", r"u?int\d+_t|std(::.*)?|orva(::bspcsg|::types|::c|::tidy)?|types(::Mesh<double>)?"),
    ("cpp:identifier", r"VertexD|MeshD|Orva(Tidy)?\w+"),  # those are on the page of C
    ("cpp:identifier", r"detail(::.*)?"),
    ("py:class", r".*"),
    ("py:data", r".*"),
]

html_theme = "furo"
html_title = f"Orva_acc {release}"
html_static_path = ["static"]
html_css_files = ["site.css"]
html_copy_source = False
html_show_sphinx = False
html_show_copyright = False

# Dark where the reader's system is. Debian's style sheet has these colours for its switch alone, not for what the system says.
dark = {
    "color-problematic": "#ee5151",
    "color-foreground-primary": "#ffffffcc",
    "color-foreground-secondary": "#9ca0a5",
    "color-foreground-muted": "#81868d",
    "color-foreground-border": "#666666",
    "color-background-primary": "#131416",
    "color-background-secondary": "#1a1c1e",
    "color-background-hover": "#1e2124ff",
    "color-background-hover--transparent": "#1e212400",
    "color-background-border": "#303335",
    "color-background-item": "#444",
    "color-api-keyword": "var(--color-foreground-secondary)",
    "color-highlight-on-target": "#333300",
    "color-highlighted-background": "#083563",
    "color-brand-primary": "#7ab3ee",
    "color-brand-content": "#7ab3ee",
}
html_theme_options = {
    "light_css_variables": {"color-brand-primary": "#2f6aa8", "color-brand-content": "#2f6aa8"},
    "dark_css_variables": dark,
}


def setup(app):
    """Leaves out the theme's script: Debian's is in two parts that do not fit together, and stops with an error. The pages need none."""

    def leave_out(app, page, template, context, tree):
        if "script_files" in context:
            context["script_files"] = [script for script in context["script_files"] if "furo.js" not in script]

    app.connect("html-page-context", leave_out)
