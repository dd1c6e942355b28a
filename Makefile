# The two entry points of a fresh checkout: `make demo` and `make test`.
JOBS ?= $(shell nproc)
DEMO_INPUT ?= examples/logo.png

.PHONY: demo test bootstrap release asan bench clean

demo: bootstrap release
	./build/release/cli/rastermill convert $(DEMO_INPUT) -o -

test: bootstrap asan
	cd build/asan && ASAN_OPTIONS=detect_leaks=1 ctest --output-on-failure -j $(JOBS)
	./scripts/run-fuzz

bootstrap:
	./scripts/bootstrap

release:
	cmake --preset release >/dev/null
	cmake --build build/release -j $(JOBS)

asan:
	cmake --preset asan >/dev/null
	cmake --build build/asan -j $(JOBS)

bench: bootstrap
	cmake --preset dev -DCMAKE_BUILD_TYPE=Release -B build/bench >/dev/null
	cmake --build build/bench -j $(JOBS) --target rm_bench
	./build/bench/bench/rm_bench

clean:
	rm -rf build
