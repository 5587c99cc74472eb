# Wraps the CMake build. Programs land in build/bin.
JOBS ?= 2
CMAKE ?= cmake

.PHONY: all build test test-asan bench demo serve e2e fuzz fuzz-smoke clean

all: build

build:
	$(CMAKE) -S . -B build -DCMAKE_BUILD_TYPE=Release -DAUX_TESTS=ON > /dev/null
	$(CMAKE) --build build -j $(JOBS)

test: build
	cd build && ctest --output-on-failure -j $(JOBS)

# The same tests under AddressSanitizer and UndefinedBehaviorSanitizer; any
# report fails the run, and so does any single allocation above 1 GB: the
# tests of damaged counts rely on that.
test-asan:
	$(CMAKE) -S . -B build-asan -DCMAKE_BUILD_TYPE=Debug -DAUX_SANITIZE=ON -DAUX_TESTS=ON > /dev/null
	$(CMAKE) --build build-asan -j $(JOBS)
	cd build-asan && ASAN_OPTIONS=detect_leaks=1:abort_on_error=1:max_allocation_size_mb=1024 UBSAN_OPTIONS=halt_on_error=1:print_stacktrace=1 \
	  ctest --output-on-failure -j $(JOBS)

# Micro-benchmarks, then the whole programs timed on synthetic databases of
# 1 000 to 100 000 probands (bench/scaling.py; databases in build-bench/data).
bench:
	$(CMAKE) -S . -B build-bench -DCMAKE_BUILD_TYPE=Release -DAUX_BENCH=ON -DAUX_TESTS=OFF > /dev/null
	$(CMAKE) --build build-bench -j $(JOBS)
	@for b in build-bench/bin/bench_*; do echo "== $$b"; $$b; done
	python3 bench/scaling.py --build build-bench

# Builds only the two programs it runs, without the build log on screen.
demo:
	@$(CMAKE) -S . -B build -DCMAKE_BUILD_TYPE=Release > /dev/null
	@$(CMAKE) --build build -j $(JOBS) --target exporter auxtool > build-demo.log 2>&1 || \
	  { echo "the build failed; see build-demo.log" >&2; exit 1; }
	bash samples/demo.sh

# The page application in a browser at http://127.0.0.1:8080/, on a copy of
# the samples in build/serve/: the templates and the setup are copied afresh
# each time, the database only when it is not there yet, so changes made in
# the browser stay until build/serve/probands.bin is removed. Ctrl-C stops it.
SERVE_PORT ?= 8080
serve:
	@$(CMAKE) -S . -B build -DCMAKE_BUILD_TYPE=Release > /dev/null
	@mkdir -p build/serve
	@$(CMAKE) --build build -j $(JOBS) --target auxserve > build/serve/build.log 2>&1 || \
	  { echo "the build failed; see build/serve/build.log" >&2; exit 1; }
	@cp -r samples/auxserve.txt samples/knowledge.bin samples/pages build/serve/
	@[ -f build/serve/probands.bin ] || cp samples/probands.bin build/serve/
	build/bin/auxserve build/serve/auxserve.txt --port $(SERVE_PORT)

# Browser tests in headless Chromium (e2e/*.test.js through playwright-core):
# builds the programs they drive (auxtool for the report pages, auxserve for
# the application, svg_pair for the BMP and SVG comparison), installs
# playwright-core when node_modules is missing, and ends with node's test
# summary. AUX_SCREENSHOTS=docs remakes the report screenshots under docs/.
e2e:
	@$(CMAKE) -S . -B build -DCMAKE_BUILD_TYPE=Release > /dev/null
	$(CMAKE) --build build -j $(JOBS) --target auxserve auxtool svg_pair
	@[ -d node_modules/playwright-core ] || npm ci --no-audit --no-fund
	npm test

# libFuzzer targets for every reader of outside files, built with clang under
# AddressSanitizer and UndefinedBehaviorSanitizer, with their seed corpora.
fuzz:
	$(CMAKE) -S . -B build-fuzz -DCMAKE_BUILD_TYPE=Debug -DCMAKE_C_COMPILER=clang -DCMAKE_CXX_COMPILER=clang++ \
	  -DAUX_FUZZ=ON -DAUX_TESTS=OFF > /dev/null
	$(CMAKE) --build build-fuzz -j $(JOBS)

# Each fuzz target for FUZZ_SECONDS (default 60); any finding fails.
FUZZ_SECONDS ?= 60
fuzz-smoke: fuzz
	bash fuzz/run_fuzzers.sh build-fuzz $(FUZZ_SECONDS)

clean:
	rm -rf build build-asan build-bench build-fuzz build-demo.log
