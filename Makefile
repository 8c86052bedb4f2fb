# The front door. Each command installs what is missing (Debian packages, through apt-get), builds
# what it needs under build/, and can be given again from any state of that folder.

.DEFAULT_GOAL := help
.PHONY: help demo gallery test python page pagetest check format lint bench soak asan tsan hammer coverage clang debug fuzz docs docstest neighbours release_check packages install clean

PREFIX ?= /usr/local

help:  ## list the commands
	@echo "gxshape: planar shape geometry for machine vision"
	@echo
	@awk -F ':.*## ' '/^[a-z_]+:.*## / {printf "  make %-13s %s\n", $$1, $$2}' $(MAKEFILE_LIST)

demo:  ## measure, repair and inspect the outlines in examples/data; pictures in build/demo
	@tools/install_packages build tool test
	@tools/build release gxshape_demo gxshape_tool
	@mkdir -p build/demo
	@examples/demo/with_the_tool build/release/bin build/demo
	build/release/bin/gxshape_demo examples/data build/demo
	@echo "your own shapes (WKT, GeoJSON, CSV ...): build/release/bin/gxshape measure FILE"

gallery:  ## draw the pictures of docs/gallery.md anew
	@tools/install_packages build tool
	@tools/build release gxshape_tool
	@tools/make_gallery

test:  ## build a release, run every test, count them
	@tools/install_packages build test python
	@tools/build release
	@tools/build_python release
	@tools/run_tests release

python:  ## the Python package; PYTHONPATH=build/release/python has it
	@tools/install_packages build python
	@tools/build_python release
	@echo "try it: PYTHONPATH=build/release/python python3 python/examples/first_lines.py"

page:  ## the WebAssembly module, the npm package, the page; build/web/page/index.html
	@tools/install_packages build web
	@tools/build_page

pagetest: page  ## the page in headless Chromium, the package in Node, numbers against the tool's
	@tools/install_packages tool
	@tools/build release gxshape_tool gxshape_web_walks
	@tools/test_page

check: test lint asan tsan  ## all that CI runs: test, lint, asan, tsan
	@tail -q -n 1 build/release/test-results/totals.txt

format:  ## repair what a tool can repair: formatting, the umbrella header
	@tools/install_packages lint
	@tools/lint --repair

lint:  ## formatting, clang-tidy, cppcheck, layout
	@tools/install_packages build test lint clang
	@tools/build release
	@tools/lint

asan:  ## the tests, compiled with clang, under the address and undefined behaviour sanitizers
	@tools/install_packages build test clang
	@tools/build asan
	@tools/run_tests asan

tsan:  ## the tests that start threads, under the thread sanitizer
	@tools/install_packages build test
	@tools/build tsan gxshape_threads_tests
	@tools/run_tests tsan --tests-regex '^threads$$'

hammer:  ## threads of Python on one region, under the thread sanitizer (ten minutes of compiling)
	@tools/install_packages build python
	@tools/hammer

debug:  ## the tests without optimisation, with the standard library's assertions
	@tools/install_packages build test
	@tools/build debug
	@tools/run_tests debug

clang:  ## a release built with clang, its tests
	@tools/install_packages build test clang
	@tools/build clang
	@tools/run_tests clang

coverage:  ## the share of lines and branches that the tests reach; build/coverage/report/index.html
	@tools/install_packages build test coverage
	@tools/build coverage
	@tools/run_tests coverage --timeout 7200
	@tools/coverage_report

soak:  ## the random tests at full length, up to 100,000 rounds and more (hours)
	@tools/install_packages build test python
	@tools/build release
	@tools/build_python release
	@tools/run_soak release

bench:  ## the benchmarks, ours and the peers'; writes docs/performance.md
	@tools/install_packages build test bench
	@tools/build bench
	@tools/run_benchmarks

fuzz:  ## fuzz each target for FUZZ_SECONDS (60); corpora stay in build/fuzz/corpus
	@tools/install_packages build tool clang
	@tools/build fuzz
	@tools/run_fuzzers

docs:  ## the documentation site; build/docs/html/index.html
	@tools/install_packages docs
	@tools/make_docs

docstest:  ## compile or run every code block of the pages (2 minutes of processor time), then make docs
	@tools/install_packages build tool test python docs recipes
	@tools/build release gxshape gxshape_gxshape_io gxshape_gxshape_cairo gxshape_tool
	@tools/build_python release
	@tools/doc_blocks.py README.md CONTRIBUTING.md CHANGES.md */README.md docs/*.md docs/site/*.md --build build/release
	@tools/make_docs

neighbours:  ## shapes to OpenCV, Boost.Geometry, Eigen, GEOS, CGAL and back (needs their packages)
	@tools/install_packages build test neighbours
	@tools/build release neighbours
	@for page in neighbours packages; do tools/doc_blocks.py docs/$$page.md --only programs --build build/release || exit 1; done

release_check:  ## what is tried before a release: neighbours, headers, ten ways to consume, debugger, symbols
	@tools/install_packages build test neighbours release
	@$(MAKE) --no-print-directory neighbours
	@tools/consume
	@tools/check_headers.py --include build/consume/moved/include/gxshape-0.1
	@cmake --install build/consume_library --prefix $(CURDIR)/build/debugger/installed >build/debugger.log
	@tools/check_debugger build/debugger/installed
	@tools/check_release build/consume/moved

packages:  ## Debian packages in build/debian: built twice and compared, lintian, tried in a fresh Debian (needs root)
	@tools/install_packages build tool python debian
	@tools/build_debian --twice
	@tools/try_packages

install:  ## install a release to PREFIX (/usr/local)
	@tools/install_packages build test
	@tools/build release
	cmake --install build/release --prefix $(PREFIX)

clean:  ## remove build/
	rm -rf build
